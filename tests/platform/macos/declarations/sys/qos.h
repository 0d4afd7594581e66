#pragma once

typedef enum : unsigned int {
    QOS_CLASS_BACKGROUND = 0x09,
} qos_class_t;
