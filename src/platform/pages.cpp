#include "platform/pages.h"

namespace tarvello {

void WebBrowser::navigate(std::string address) {
    address_ = std::move(address);
    if (browser) browser->navigate(address_);
}

void WebBrowser::go_back() {
    if (browser) browser->go_back();
}

void WebBrowser::go_forward() {
    if (browser) browser->go_forward();
}

void WebBrowser::refresh() {
    if (browser) browser->refresh();
}

void HtmlText::set_html(std::string html) {
    if (html == html_) return;
    html_ = std::move(html);
    changed(Aspect::text);
}

void Document::set_document(std::string document) {
    if (document_ == document) return;
    document_ = std::move(document);
    changed(Aspect::text);
}

} // namespace tarvello
