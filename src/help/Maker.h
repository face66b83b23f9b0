#pragma once

#include <string_view>

#include "platform/Toolkit.h"

/// Who makes the program: the one place that holds the maker's data. The postal data are placeholders until
/// the first release is sold; the addresses lie in a domain that is reserved for examples.
namespace kd::maker {

/// The program's title.
inline constexpr std::string_view ProgramTitle = DefaultTitle;
/// Six lines: name, street, town and region, country and postal code, telephone, fax.
inline constexpr std::string_view CompanyInfo =
    "Kestrix Quality Systems\r\n"
    "1 Sample Street\r\n"
    "Sampleton, Sample Region\r\n"
    "Sampleland 00000\r\n"
    "Tel: +00 000 000000\r\n"
    "Fax: +00 000 000001";
inline constexpr std::string_view Website = "https://www.example.com";
inline constexpr std::string_view Email = "support@example.com";

}  // namespace kd::maker
