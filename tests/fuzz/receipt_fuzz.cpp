// The reader of receipts: whatever comes in, a receipt or words come out.
#include "e_invoice/receipt.h"
#include "e_invoice/receipt_errors.h"
#include "failure.h"
#include "memory_watch.h"

#include <cstdint>

using namespace tarvello;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const MemoryWatch watch(size);
    try {
        e_invoice::Receipt receipt =
            e_invoice::read_receipt(std::string_view(reinterpret_cast<const char*>(data), size));
        if (e_invoice::receipt_identity(receipt).empty()) std::abort();
        const std::size_t errors = receipt.errors.size();
        if (e_invoice::in_helpful_order(std::move(receipt.errors)).size() != errors) std::abort();
    } catch (const Failure& failure) {
        if (failure.description().empty()) std::abort();
    }
    return 0;
}
