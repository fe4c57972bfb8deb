#pragma once

#include <memory>
#include <string>

namespace tarvello {

/// An instance of the word processor with at most one document, hidden from the user. Every operation waits
/// until it is done and throws a Failure if it was not: also if the word processor has died, or has not
/// answered for half a minute and has been ended.
class WordApplication {
public:
    virtual ~WordApplication() = default;

    /// Opens a document; the file itself is never written or locked.
    virtual void open_read_only(const std::string& path) = 0;

    /// Replaces every occurrence of a text, also one inside which the formatting changes. Letter case does
    /// not matter, word limits neither.
    /// @param value  anything; a line break in it becomes one in the document
    virtual void replace_all(const std::string& text, const std::string& value) = 0;

    /// Saves under this name in the format that the document had when it was opened, whatever the name ends
    /// in. A file that stands there is replaced whole.
    virtual void save_as(const std::string& path) = 0;

    /// Gives the document that was saved last to the user, in the user's own word processor, without waiting.
    virtual void show() = 0;

    /// Closes the document. The application is of no further use.
    virtual void quit() = 0;
};

class WordProcessor {
public:
    /// A new instance. @throws Failure if there is no word processor, or it does not start
    virtual std::unique_ptr<WordApplication> start() = 0;

protected:
    ~WordProcessor() = default;
};

} // namespace tarvello
