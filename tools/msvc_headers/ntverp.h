#pragma once

#define VER_PRODUCTBUILD 7600
