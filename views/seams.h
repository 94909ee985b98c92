#pragma once
// The seams moved to views/common/; screens written against this header still compile.
#include "views/common/dialogs.h"
#include "views/common/filedialogs.h"
