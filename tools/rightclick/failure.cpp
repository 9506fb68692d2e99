#include "tools/rightclick/failure.h"

#include "foundation/text/number.h"

namespace rightclick {

std::string hexadecimal(HRESULT result) {
    return "0x" +
           owlkit::formatNumber<char>(static_cast<std::uint32_t>(result), owlkit::NumberFormat::UpperHex, 8);
}

void require(HRESULT result, const char* message) {
    if (FAILED(result))
        throw Failure(ExitCode::PlatformFailure, std::string(message) + " (" + hexadecimal(result) + ")");
}

}  // namespace rightclick
