#pragma once

namespace kit {

// A text that may be null, as one that is not.
constexpr const char* OrEmpty(const char* text) { return text ? text : ""; }

}  // namespace kit
