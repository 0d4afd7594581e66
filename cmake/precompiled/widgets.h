#pragma once

// What most sources with a window include.
#include "cmake/precompiled/core.h"

#include <QApplication>
#include <QIcon>
#include <QPainter>
#include <QPixmap>
#include <QVBoxLayout>
#include <QWidget>
