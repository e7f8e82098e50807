# Warnings are errors for every target of this tree.
add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Werror)
# Not in the optimised build: there GCC 12 warns of overlapping copies inside its own string library that cannot happen.
add_compile_options($<$<CONFIG:Release>:-Wno-error>)
