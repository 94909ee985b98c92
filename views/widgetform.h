#pragma once
// Moved to views/common/; screens written against this header still compile.
#include "views/common/widgetform.h"
