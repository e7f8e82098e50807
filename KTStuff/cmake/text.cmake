# Operations on texts, over tables and codecs that the platform has.
set(KT_TEXT CocoaExtensions/StringExtensions)
kt_library(kt_text
  SOURCES
    ${KT_TEXT}BestEncoding.cpp
    ${KT_TEXT}Comparing.cpp
    ${KT_TEXT}Digests.cpp
    ${KT_TEXT}Edits.cpp
    ${KT_TEXT}EmojiTables.cpp
    ${KT_TEXT}Encodings.cpp
    ${KT_TEXT}Escapes.cpp
    ${KT_TEXT}Html.cpp
    ${KT_TEXT}Keyboard.cpp
    ${KT_TEXT}Lines.cpp
    ${KT_TEXT}Numbers.cpp
    ${KT_TEXT}Pages.cpp
    ${KT_TEXT}PercentEscapes.cpp
    ${KT_TEXT}RegexReplacing.cpp
    ${KT_TEXT}Scalars.cpp
    ${KT_TEXT}Units.cpp
    ${KT_TEXT}VirtualCharacters.cpp
    ${KT_TEXT}Whitespace.cpp
    ${KT_TEXT}Wildcards.cpp
    KTClasses/KTRegularExpression.cpp
  USES kt_core)
# Texts of ten megabytes are part of the tests, also of builds that are not optimised.
target_compile_options(kt_text PRIVATE $<$<CONFIG:Debug>:-O1>)
