#pragma once

#include "wire/MIDIConstants.h" // IWYU pragma: export
