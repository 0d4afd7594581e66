// The name under which GNUstep's headers include the runtime of blocks.
#pragma once

#include <Block.h>
