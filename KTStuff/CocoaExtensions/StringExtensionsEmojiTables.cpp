#include "KTStuff/CocoaExtensions/StringExtensionsEmojiTables.h"

#include <cstdint>

namespace halvorn {
namespace {

constexpr char32_t ZWJ = 0x200D;   // zero-width joiner
constexpr char32_t VS16 = 0xFE0F;  // show the character before as emoji
constexpr char32_t MAN = 0x1F468;
constexpr char32_t WOMAN = 0x1F469;
constexpr char32_t GIRL = 0x1F467;
constexpr char32_t BOY = 0x1F466;
constexpr char32_t MALE = 0x2642;
constexpr char32_t FEMALE = 0x2640;
constexpr char32_t HEART = 0x2764;
constexpr char32_t KISS_MARK = 0x1F48B;

struct Symbol {
  char32_t scalar;
  char32_t variation = 0;  // VS16 where it needs one
};

// Two rows each: man and object, woman and object.
constexpr Symbol kProfessions[] = {
    {0x2695, VS16},  // staff of Aesculapius: health
    {0x1F393},       // graduation cap
    {0x1F3EB},       // school
    {0x2696, VS16},  // scales: judge
    {0x1F33E},       // ear of rice: farmer
    {0x1F373},       // cooking
    {0x1F527},       // wrench
    {0x1F3ED},       // factory
    {0x1F4BC},       // briefcase
    {0x1F52C},       // microscope
    {0x1F4BB},       // computer
    {0x1F3A4},       // microphone
    {0x1F3A8},       // palette
    {0x2708, VS16},  // airplane: pilot
    {0x1F680},       // rocket
    {0x1F692},       // fire engine
};

enum class First : std::uint8_t { Male, Female };
struct People {
  First first;  // the sign of the first of the two rows
  Symbol base;
};

// Two rows each: base and sign, base and the other sign.
constexpr People kPeople[] = {
    {First::Male, {0x1F46E}},        // police officer
    {First::Male, {0x1F575, VS16}},  // detective
    {First::Male, {0x1F482}},        // guard
    {First::Male, {0x1F477}},        // construction worker
    {First::Male, {0x1F473}},        // turban
    {First::Male, {0x1F471}},        // blond hair
    {First::Female, {0x1F9D9}},      // mage
    {First::Female, {0x1F9DA}},      // fairy
    {First::Female, {0x1F9DB}},      // vampire
    {First::Female, {0x1F9DC}},      // mermaid
    {First::Female, {0x1F9DD}},      // elf
    {First::Female, {0x1F9DE}},      // genie
    {First::Female, {0x1F9DF}},      // zombie
    {First::Male, {0x1F64D}},        // frowning
    {First::Male, {0x1F64E}},        // pouting
    {First::Male, {0x1F645}},        // no
    {First::Male, {0x1F646}},        // OK
    {First::Male, {0x1F481}},        // tipping a hand
    {First::Male, {0x1F64B}},        // raising a hand
    {First::Male, {0x1F647}},        // bowing
    {First::Male, {0x1F926}},        // face palm
    {First::Male, {0x1F937}},        // shrug
    {First::Male, {0x1F486}},        // massage
    {First::Male, {0x1F487}},        // haircut
    {First::Male, {0x1F6B6}},        // walking
    {First::Male, {0x1F3C3}},        // running
    {First::Male, {0x1F46F}},        // bunny ears
    {First::Female, {0x1F9D6}},      // steamy room
    {First::Female, {0x1F9D7}},      // climbing
    {First::Female, {0x1F9D8}},      // lotus position
    {First::Male, {0x1F3CC, VS16}},  // golf
    {First::Male, {0x1F3C4}},        // surfing
    {First::Male, {0x1F6A3}},        // rowing
    {First::Male, {0x1F3CA}},        // swimming
    {First::Male, {0x26F9, VS16}},   // ball
    {First::Male, {0x1F3CB, VS16}},  // weights
    {First::Male, {0x1F6B4}},        // cycling
    {First::Male, {0x1F6B5}},        // mountain bike
    {First::Male, {0x1F938}},        // cartwheel
    {First::Male, {0x1F93C}},        // wrestling
    {First::Male, {0x1F93D}},        // water polo
    {First::Male, {0x1F93E}},        // handball
    {First::Male, {0x1F939}},        // juggling
};

// One row each, as they stand.
constexpr ZWJSequence kGroups[] = {
    {0x1F48F},  // kiss
    {WOMAN, ZWJ, HEART, VS16, ZWJ, KISS_MARK, ZWJ, MAN},
    {MAN, ZWJ, HEART, VS16, ZWJ, KISS_MARK, ZWJ, MAN},
    {WOMAN, ZWJ, HEART, VS16, ZWJ, KISS_MARK, ZWJ, WOMAN},
    {0x1F491},  // couple with heart
    {WOMAN, ZWJ, HEART, VS16, ZWJ, MAN},
    {MAN, ZWJ, HEART, VS16, ZWJ, MAN},
    {WOMAN, ZWJ, HEART, VS16, ZWJ, WOMAN},
    {0x1F46A},  // family
    {MAN, ZWJ, WOMAN, ZWJ, BOY},
    {MAN, ZWJ, WOMAN, ZWJ, GIRL},
    {MAN, ZWJ, WOMAN, ZWJ, GIRL, ZWJ, BOY},
    {MAN, ZWJ, WOMAN, ZWJ, BOY, ZWJ, BOY},
    {MAN, ZWJ, WOMAN, ZWJ, GIRL, ZWJ, GIRL},
    {MAN, ZWJ, MAN, ZWJ, BOY},
    {MAN, ZWJ, MAN, ZWJ, GIRL},
    {MAN, ZWJ, MAN, ZWJ, GIRL, ZWJ, BOY},
    {MAN, ZWJ, MAN, ZWJ, BOY, ZWJ, BOY},
    {MAN, ZWJ, MAN, ZWJ, GIRL, ZWJ, GIRL},
    {WOMAN, ZWJ, WOMAN, ZWJ, BOY},
    {WOMAN, ZWJ, WOMAN, ZWJ, GIRL},
    {WOMAN, ZWJ, WOMAN, ZWJ, GIRL, ZWJ, BOY},
    {WOMAN, ZWJ, WOMAN, ZWJ, BOY, ZWJ, BOY},
    {WOMAN, ZWJ, WOMAN, ZWJ, GIRL, ZWJ, GIRL},
    {MAN, ZWJ, BOY},
    {MAN, ZWJ, BOY, ZWJ, BOY},
    {MAN, ZWJ, GIRL},
    {MAN, ZWJ, GIRL, ZWJ, BOY},
    {MAN, ZWJ, GIRL, ZWJ, GIRL},
    {WOMAN, ZWJ, BOY},
    {WOMAN, ZWJ, BOY, ZWJ, BOY},
    {WOMAN, ZWJ, GIRL},
    {WOMAN, ZWJ, GIRL, ZWJ, BOY},
    {WOMAN, ZWJ, GIRL, ZWJ, GIRL},
    {0x1F441, VS16, ZWJ, 0x1F5E8, VS16},  // eye in speech bubble
    {0x1F3F3, VS16, ZWJ, 0x1F308},        // rainbow flag
};

static_assert(2 * std::size(kProfessions) + 2 * std::size(kPeople) + std::size(kGroups) == N_ZWJ_SEQUENCES);

constexpr ZWJSequence joined(Symbol person, Symbol second) {
  ZWJSequence row{};
  std::size_t length = 0;
  for (const char32_t scalar : {person.scalar, person.variation, ZWJ, second.scalar, second.variation}) {
    if (scalar != 0) row[length++] = scalar;
  }
  return row;
}

consteval std::array<ZWJSequence, N_ZWJ_SEQUENCES> allSequences() {
  std::array<ZWJSequence, N_ZWJ_SEQUENCES> rows{};
  std::size_t next = 0;
  for (const Symbol& object : kProfessions) {
    rows[next++] = joined({MAN}, object);
    rows[next++] = joined({WOMAN}, object);
  }
  for (const People& people : kPeople) {
    const bool isMaleFirst = people.first == First::Male;
    rows[next++] = joined(people.base, {isMaleFirst ? MALE : FEMALE, VS16});
    rows[next++] = joined(people.base, {isMaleFirst ? FEMALE : MALE, VS16});
  }
  for (const ZWJSequence& group : kGroups) rows[next++] = group;
  return rows;
}

consteval std::array<KeycapSequence, N_KEYCAP_SEQUENCES> allKeycaps() {
  constexpr char32_t kEnclosingKeycap = 0x20E3;
  std::array<KeycapSequence, N_KEYCAP_SEQUENCES> rows{};
  for (std::size_t i = 0; i < rows.size(); ++i) rows[i] = {U"#*0123456789"[i], kEnclosingKeycap, 0};
  return rows;
}

}  // namespace

constinit const std::array<ZWJSequence, N_ZWJ_SEQUENCES> ZWJ_SEQUENCES = allSequences();
constinit const std::array<KeycapSequence, N_KEYCAP_SEQUENCES> KEYCAP_SEQUENCES = allKeycaps();

}  // namespace halvorn
