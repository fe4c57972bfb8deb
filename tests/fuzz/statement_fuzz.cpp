// The reader of SQL texts: whatever comes in, a statement or a Failure comes out.
#include "failure.h"
#include "store/like_pattern.h"
#include "store/statement.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace tarvello;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    try {
        const store::Statement statement = store::parse_statement(text);
        for (const store::Condition& condition : statement.conditions) {
            store::LikePattern(condition.literal.text).matches(statement.table);
        }
    } catch (const Failure& failure) {
        if (failure.description().empty()) std::abort();
    }
    return 0;
}
