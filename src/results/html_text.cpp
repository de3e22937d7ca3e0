#include "results/html_text.h"

#include <cstdint>

#include "base/paths.h"
#include "base/whole_file.h"

namespace velumar {

namespace {

constexpr std::size_t kLargestPicture = std::size_t{4} << 20;

constexpr std::string_view kBeforeTitle = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>)";

constexpr std::string_view kStyle = R"(</title>
<style>
:root { color-scheme: light dark; --ink: #1b2536; --faint: #5c677a; --rule: #b9c5d8;
  --band: #f1f4f9; --paper: #fff; --won: #1a7f37; --lost: #c62828; }
@media screen and (prefers-color-scheme: dark) {
  :root { --ink: #e4e9f2; --faint: #9aa6ba; --rule: #3a4558; --band: #1d2430; --paper: #151a22;
    --won: #56c271; --lost: #ff7b72; }
}
body { font: 15px/1.45 "Segoe UI", "Noto Sans", "DejaVu Sans", sans-serif; color: var(--ink);
  background: var(--paper); max-width: 70rem; margin: 0 auto; padding: 1.5rem; }
h1 { font-size: 1.6rem; } h2 { font-size: 1.25rem; margin-top: 2.2rem; }
h3 { font-size: 1.05rem; margin: 0 0 .3rem; }
.scroll { overflow-x: auto; }
table { border-collapse: collapse; width: 100%; font-size: .9rem; }
th, td { padding: .3rem .6rem; text-align: left; white-space: nowrap;
  border-bottom: 1px solid var(--rule); }
td.note { white-space: normal; min-width: 12rem; }
tbody tr:nth-child(even) { background: var(--band); }
.n { text-align: right; font-variant-numeric: tabular-nums; }
.won { color: var(--won); } .lost { color: var(--lost); }
section { border-top: 1px solid var(--rule); padding: 1rem 0; break-inside: avoid; }
p { margin: .25rem 0; white-space: pre-wrap; overflow-wrap: anywhere; } .faint { color: var(--faint); }
figure { margin: .6rem 0; } figcaption { color: var(--faint); font-size: .85rem; }
img { max-width: 100%; height: auto; border: 1px solid var(--rule); border-radius: 4px; }
a { color: inherit; }
)";

constexpr std::string_view kBody = R"(</style>
</head>
<body>
)";

std::string Base64(std::string_view bytes) {
  static constexpr std::string_view kDigits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const auto byte = [&](std::size_t at) {
      return at < bytes.size() ? std::uint32_t{static_cast<unsigned char>(bytes[at])} : 0;
    };
    const std::uint32_t three = byte(i) << 16U | byte(i + 1) << 8U | byte(i + 2);
    for (std::size_t digit = 0; digit < 4; ++digit) {
      const bool padding = i + digit > bytes.size();
      text += padding ? '=' : kDigits[three >> (18U - 6U * digit) & 63U];
    }
  }
  return text;
}

}  // namespace

std::string HtmlText(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

std::string HtmlHead(std::string_view title, std::string_view style) {
  const std::string text = HtmlText(title);
  std::string head(kBeforeTitle);
  head.append(text).append(kStyle).append(style).append(kBody);
  return head + "<h1>" + text + "</h1>\n";
}

std::string HtmlParagraph(std::string_view kind, std::string_view text) {
  if (text.empty()) return {};
  return (kind.empty() ? "<p>" : "<p class=\"" + std::string(kind) + "\">") + HtmlText(text) +
         "</p>\n";
}

std::string PngAddress(std::string_view bytes) { return "data:image/png;base64," + Base64(bytes); }

std::string HtmlPicture(const std::string& file, std::string_view caption) {
  if (file.empty()) return {};
  try {
    const std::string bytes = ReadWholeFile(NativePath(file), kLargestPicture);
    const std::string text = HtmlText(caption);
    return "<figure><img alt=\"" + text + "\" src=\"" + PngAddress(bytes) + "\"><figcaption>" +
           text + "</figcaption></figure>\n";
  } catch (const FileError&) {
    return {};
  }
}

}  // namespace velumar
