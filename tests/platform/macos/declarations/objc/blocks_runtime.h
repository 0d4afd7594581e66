// The name under which GNUstep's headers ask for the runtime of blocks.
#pragma once

#include <Block.h>
