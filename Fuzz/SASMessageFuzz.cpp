// Any bytes as a message of the common-interface module.
#include "Fuzz/SASMessageCheck.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    CheckSASMessage({data, size});
    return 0;
}
