// The search for receipts in mails, archives and signed files: it ends, with receipts or with words.
#include "e_invoice/receipt_import.h"
#include "memory_watch.h"

#include <cstdint>

using namespace tarvello;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const MemoryWatch watch(size);
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const e_invoice::ReceiptImport import = e_invoice::find_receipts(bytes, "file");
    if (import.receipts.empty() && import.words.empty()) std::abort();
    return 0;
}
