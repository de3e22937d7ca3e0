#pragma once

#include "forms/control.h"
