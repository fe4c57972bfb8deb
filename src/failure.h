#pragma once

#include <exception>
#include <string>
#include <utility>

namespace tarvello {

/// A step that could not be done. The one exception type of the program.
///
/// What nobody catches reaches the top of the application, which shows `description` to the user and ends the
/// process. So the description is a sentence in Italian.
class Failure : public std::exception {
public:
    /// @param number       stands beside the description where a message shows both
    /// @param source       the part of the program that failed, such as "Archivio"
    /// @param description  what went wrong, for the user
    Failure(int number, std::string source, std::string description)
        : number_(number), source_(std::move(source)), description_(std::move(description)) {}

    int number() const { return number_; }
    const std::string& source() const { return source_; }
    const std::string& description() const { return description_; }
    const char* what() const noexcept override { return description_.c_str(); }

private:
    int number_;
    std::string source_;
    std::string description_;
};

/// The numbers of the failures that more than one room raises.
namespace failure_number {
inline constexpr int overflow = 6;
inline constexpr int type_mismatch = 13;
inline constexpr int file_not_found = 53;
inline constexpr int disk_full = 61;
inline constexpr int file_access = 75;
inline constexpr int content_lost = 76; // a file could not be written, and is not what it was either
inline constexpr int object_not_set = 91;
inline constexpr int invalid_use_of_null = 94;
inline constexpr int invalid_index = 380;
inline constexpr int word_processor = 462; // it does not answer
inline constexpr int database = 3000;      // what the database engine reports
inline constexpr int in_use = 3045;        // by another program
inline constexpr int no_current_record = 3021;
inline constexpr int statement = 3075;       // an SQL text that is none
inline constexpr int no_such_element = 3265; // also a table or a column
inline constexpr int object_closed = 3704;
inline constexpr int object_open = 3705;
} // namespace failure_number

/// Runs each step in turn and drops its failure: the next one runs all the same.
template <typename... Steps>
void skip_failures(Steps&&... steps) {
    const auto run = [](auto&& step) {
        try {
            step();
        } catch (const Failure&) {
            // Dropped by request: the name of the function says so at the place of the call.
        }
    };
    (run(std::forward<Steps>(steps)), ...);
}

} // namespace tarvello
