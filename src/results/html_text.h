#pragma once

#include <string>
#include <string_view>

namespace velumar {

// Pages for a browser that need no other file: no script, no link to the outside, light and dark as
// the reader's system, and light on paper.

// Everything from the doctype to the heading. `style` is added to what all pages have.
std::string HtmlHead(std::string_view title, std::string_view style = {});
// The end of such a page.
inline constexpr std::string_view kHtmlEnd = "</body>\n</html>\n";

// The text with what HTML would read as markup escaped.
std::string HtmlText(std::string_view text);

// "<p>" with a text, of the class `kind` unless that is empty; nothing for an empty text.
std::string HtmlParagraph(std::string_view kind, std::string_view text);

// "data:image/png;base64,...".
std::string PngAddress(std::string_view bytes);

// A PNG file as a picture with a caption, within the page. Empty if the file can't be read.
std::string HtmlPicture(const std::string& file, std::string_view caption);

}  // namespace velumar
