#pragma once

namespace fuzz {

struct Entry;

/// The first of the list of targets of this executable.
const Entry* firstEntry();

} // namespace fuzz

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);
