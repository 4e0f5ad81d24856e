#include "base/Extensions.h"

#include "base/Console.h"
#include "base/Paths.h"
#include "base/RandomSource.h"
#include "base/Text.h"

#include <system_error>

namespace volvelle {

namespace {

// The characters of the MacRoman bytes 0x80 to 0xFF.
constexpr std::array<char16_t, 128> macRomanUpperHalf = {
    0x00C4, 0x00C5, 0x00C7, 0x00C9, 0x00D1, 0x00D6, 0x00DC, 0x00E1, 0x00E0, 0x00E2, 0x00E4, 0x00E3, 0x00E5,
    0x00E7, 0x00E9, 0x00E8, 0x00EA, 0x00EB, 0x00ED, 0x00EC, 0x00EE, 0x00EF, 0x00F1, 0x00F3, 0x00F2, 0x00F4,
    0x00F6, 0x00F5, 0x00FA, 0x00F9, 0x00FB, 0x00FC, 0x2020, 0x00B0, 0x00A2, 0x00A3, 0x00A7, 0x2022, 0x00B6,
    0x00DF, 0x00AE, 0x00A9, 0x2122, 0x00B4, 0x00A8, 0x2260, 0x00C6, 0x00D8, 0x221E, 0x00B1, 0x2264, 0x2265,
    0x00A5, 0x00B5, 0x2202, 0x2211, 0x220F, 0x03C0, 0x222B, 0x00AA, 0x00BA, 0x03A9, 0x00E6, 0x00F8, 0x00BF,
    0x00A1, 0x00AC, 0x221A, 0x0192, 0x2248, 0x2206, 0x00AB, 0x00BB, 0x2026, 0x00A0, 0x00C0, 0x00C3, 0x00D5,
    0x0152, 0x0153, 0x2013, 0x2014, 0x201C, 0x201D, 0x2018, 0x2019, 0x00F7, 0x25CA, 0x00FF, 0x0178, 0x2044,
    0x20AC, 0x2039, 0x203A, 0xFB01, 0xFB02, 0x2021, 0x00B7, 0x201A, 0x201E, 0x2030, 0x00C2, 0x00CA, 0x00C1,
    0x00CB, 0x00C8, 0x00CD, 0x00CE, 0x00CF, 0x00CC, 0x00D3, 0x00D4, 0xF8FF, 0x00D2, 0x00DA, 0x00DB, 0x00D9,
    0x0131, 0x02C6, 0x02DC, 0x00AF, 0x02D8, 0x02D9, 0x02DA, 0x00B8, 0x02DD, 0x02DB, 0x02C7};

void appendUTF8(std::string& result, unsigned character)
{
    if (character < 0x80) {
        result += static_cast<char>(character);
    } else if (character < 0x800) {
        result += static_cast<char>(0xC0U | character >> 6U);
        result += static_cast<char>(0x80U | (character & 0x3FU));
    } else {
        result += static_cast<char>(0xE0U | character >> 12U);
        result += static_cast<char>(0x80U | (character >> 6U & 0x3FU));
        result += static_cast<char>(0x80U | (character & 0x3FU));
    }
}

std::string bytesAsHex(std::uint64_t value)
{
    std::string result;
    for (int shift = 56; shift >= 0; shift -= 8) {
        result += hexadecimal(static_cast<std::uint8_t>(value >> static_cast<unsigned>(shift) & 0xFFU));
    }
    return result;
}

std::string globallyUniqueString()
{
    static std::uint64_t count = 0;
    std::string result;
    for (int i = 0; i < 16; ++i) {
        result += hexadecimal(static_cast<std::uint8_t>(randomInteger(0, 0xFF)));
    }
    return result + bytesAsHex(count++);
}

} // namespace

std::optional<std::filesystem::path> documentsURL;
std::optional<std::filesystem::path> resourcesURL;
std::optional<std::filesystem::path> sharedURLAudio;
std::optional<std::filesystem::path> sharedURLMIDI;

// clang-format off
constinit const std::array<std::string_view, 197> capitals = {
    "Kabul", "Tirana", "Algiers", "Andorra la Vella", "Luanda", "St. John's", "Buenos Aires", "Yerevan",
    "Canberra", "Vienna", "Baku", "Nassau", "Manama", "Dhaka", "Bridgetown", "Minsk", "Brussels", "Belmopan",
    "Porto Novo", "Thimphu", "Sucre", "Sarajevo", "Gaborone", "Brasilia", "Bandar Seri Begawan", "Sofia",
    "Ouagadougou", "Bujumbura", "Phnom Penh", "Yaoundé", "Ottawa", "Praia", "Bangui", "N'Djamena",
    "Santiago", "Beijing", "Bogota", "Moroni", "San José", "Zagreb", "Havana", "Nicosia", "Prague",
    "Kinshasa", "Copenagen", "Djibouti", "Roseau", "Santo Domingo", "Dili", "Quito", "Cairo", "San Salvador",
    "Malabo", "Asmara", "Tallinn", "Mbabane", "Addis Ababa", "Suva", "Helsinki", "Paris", "Libreville",
    "Banjul", "Tbilisi", "Berlin", "Accra", "Athens", "St. George's", "Guatemala City", "Conakry", "Bissau",
    "Georgetown", "Port-au-Prince", "Tegucigalpa", "Budapest", "Reykjavík", "New Delhi", "Jakarta", "Tehran",
    "Baghdad", "Dublin", "Jerusalem", "Rome", "Yamoussoukro", "Kingston", "Tokyo", "Amman", "Astana",
    "Nairobi", "Tarawa", "Pyongyang", "Seoul", "Pristina", "Kuwait City", "Bishkek", "Vientiane", "Riga",
    "Beirut", "Maseru", "Monrovia", "Tripoli", "Vaduz", "Vilnius", "Luxembourg", "Antananarivo", "Lilongwe",
    "Kuala Lumpur", "Malé", "Bamako", "Valletta", "Majuro", "Nouakchott", "Port Louis", "Mexico City",
    "Palikir", "Chisinau", "Monaco", "Ulaanbaatar", "Podgorica", "Rabat", "Maputo", "Naypyidaw", "Windhoek",
    "Yaren", "Kathmandu", "Amsterdam", "Wellington", "Managua", "Niamey", "Abuja", "Skopje", "Oslo",
    "Muscat", "Islamabad", "Melekeok", "East Jerusalem", "Panama City", "Port Moresby", "Asunción", "Lima",
    "Manila", "Warsaw", "Lisbon", "Doha", "Brazzaville", "Bucharest", "Moscow", "Kigali", "Basseterre",
    "Castries", "Kingstown", "Apia", "San Marino", "São Tomé", "Riyadh", "Dakar", "Belgrade", "Victoria",
    "Freetown", "Singapore", "Bratislava", "Ljubljana", "Honiara", "Mogadishu", "Pretoria", "Juba", "Madrid",
    "Sri Jayawardenapura Kotte", "Khartoum", "Paramaribo", "Stockholm", "Bern", "Damascus", "Taipei",
    "Dushanbe", "Dodoma", "Bangkok", "Lomé", "Nukualofa", "Port of Spain", "Tunis", "Ankara", "Ashgabat",
    "Funafuti", "Kampala", "Kiev", "Abu Dhabi", "London", "Washington D.C.", "Montevideo", "Tashkent",
    "Port Vila", "Vatican City", "Caracas", "Hanoi", "Sana'a", "Lusaka", "Harare"};
// clang-format on

bool ensureDirectoryExists(const std::filesystem::path& url)
{
    std::error_code error;
    if (std::filesystem::exists(url, error)) {
        return true;
    }
    std::filesystem::create_directories(url, error);
    if (!error) {
        return true;
    }
    debugprint("ensureDirectoryExists() : ERROR: Creating required directory '", url.string(),
               "' failed: ", error.message());
    return false;
}

void getPaths()
{
    documentsURL = documentsFolder();
    safeprint(documentsURL
                  ? concat("AudioUnitViewController::getPaths() : Audio Unit's documents path is: ",
                           documentsURL->string())
                  : "AudioUnitViewController::getPaths() : ERROR: Audio Unit's documents path is nil.");
    resourcesURL = resourcesFolder();
    safeprint(resourcesURL
                  ? concat("AudioUnitViewController::getPaths() : Audio Unit's resources path is: ",
                           resourcesURL->string())
                  : "AudioUnitViewController::getPaths() : ERROR: Audio Unit's resources path is nil.");
}

std::string stringValue(std::uint32_t code)
{
    std::string result;
    for (unsigned shift = 32; shift > 0; shift -= 8) {
        const unsigned byte = code >> (shift - 8) & 0xFFU;
        appendUTF8(result, byte < 0x80 ? byte : macRomanUpperHalf[byte - 0x80]);
    }
    return result;
}

std::string uniqueName(const std::optional<std::string>& withPrefix)
{
    return withPrefix ? *withPrefix + "-" + globallyUniqueString() : globallyUniqueString();
}

} // namespace volvelle
