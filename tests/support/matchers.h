#pragma once

#include <gmock/gmock.h>

namespace velumar {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using testing::ThrowsMessage;

}  // namespace velumar
