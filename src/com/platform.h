// The platform's headers, in the one order in which every compiler takes them.
#pragma once

#include <windows.h>
// clang-format off
#include <objbase.h>
#include <oleauto.h>
#include <ocidl.h>
// clang-format on
