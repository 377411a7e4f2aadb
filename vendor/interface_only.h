// Included before every source of the module in the interface check: what the module may see of the
// interface, with every name poisoned that is not the vendor's. System and library headers come first because
// they may use such a name for something of their own.
#pragma once

#include <algorithm>
#include <cerrno>
#include <cfloat>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <iterator>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>
#ifdef __SSE2__
#include <emmintrin.h>
#endif
#ifdef KELVRA_HAVE_LASLIB
#include "bytestreamin_array.hpp"
#include "integercompressor.hpp"
#include "lasreader.hpp"
#include "lasreader_las.hpp"
#include "lasreadpoint.hpp"
#ifdef KELVRA_LASLIB_BUILT
#include "laslib_messages.h"
#endif
#endif
#ifndef _WIN32
#include <curl/curl.h>
#endif

#include "c4d.h"
#include "c4d_baseeffectordata.h"
#include "c4d_gl.h"
#include "c4d_particles.h"
#include "customgui_splinecontrol.h"
#include "ge_dynamicarray.h"
#include "lib_hair.h"
#include "lib_prefs.h"

#include "poisoned_names.h" // made by make_lists.py
