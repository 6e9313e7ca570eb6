// Included ahead of every source: the C writers that do not know the size of what they write to do not compile here.
// Text (text.h) is written instead.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#pragma GCC poison strcpy stpcpy strncpy strcat strncat sprintf vsprintf snprintf gets
