#pragma once

#include <exception>
#include <string>

#include "marketdata/metalib_error.h"
#include "platform/services.h"

namespace velumar {

// A library error as the text of a box: number, carriage return, sentence.
std::string LibraryErrorText(const MetaLibError& error);

// Shows a box with what failed and why. The number of a library error comes first.
void ShowFailure(MessageBoxes& boxes, const std::string& what, const std::exception& error);

}  // namespace velumar
