// Any bytes as an XLIFF file: what is taken is written and read back the same, and reaches the language file.
#include "fuzz/fuzz_exchange.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(fuzz::view(data, size));
    auto exchange = fuzz::exchangeOf([&] { return translators::readXliff(bytes); });
    if (!exchange)
        return 0;
    fuzz::requireUtf8(*exchange);
    exchange->date = "2026-01-31 12:00+0000";
    const auto again =
        fuzz::exchangeOf([&] { return translators::readXliff(translators::writeXliff(*exchange, "a")); });
    fuzz::require(again.has_value());
    fuzz::requireSameUnits(*exchange, *again);
    fuzz::require(again->language == exchange->language);
    fuzz::requireImported(*exchange);
    return 0;
}
