// Any bytes as a PO file: what is taken is written and read back the same, and reaches the language file.
#include "fuzz/fuzz_exchange.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(fuzz::view(data, size));
    fuzz::exchangeOf([&] { return translators::readExchange(bytes); });
    const auto exchange = fuzz::exchangeOf([&] { return translators::readPo(bytes); });
    if (!exchange)
        return 0;
    fuzz::requireUtf8(*exchange);
    const auto again = fuzz::exchangeOf([&] { return translators::readPo(translators::writePo(*exchange)); });
    fuzz::require(again.has_value());
    fuzz::requireSameUnits(*exchange, *again);
    fuzz::requireImported(*exchange);
    return 0;
}
