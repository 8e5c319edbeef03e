# Joins the page to one HTML file, but for the data, and puts it into a C++ source:
#   cmake -DPAGE=<this folder> -DDYGRAPHS=<folder of dygraph.min.js> -DLICENCE=<file> -DSOURCE=<to write> -P join_page.cmake
# The script's modules become one: imports go, exports lose the word. A policy names the hash of what may run.
cmake_minimum_required(VERSION 3.25)

# In this order, each behind those it imports.
set(modules figures elements table time_window gestures time_axis plot recording checks programs pid_names
    pids_table rates clocks dots_plot faults tables guide cues teletext transcript page)

# The base64 of the SHA-256 of a text, as a policy has it.
function(hash_of text result)
    string(SHA256 digits "${text}")
    string(APPEND digits "00") # 264 bits are 44 times 6; the last 6 are none of the digest
    set(alphabet ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/)
    set(base64 "")
    foreach(number RANGE 0 63 3)
        string(SUBSTRING "${digits}" ${number} 3 three)
        math(EXPR first "0x${three} >> 6")
        math(EXPR second "0x${three} & 63")
        string(SUBSTRING ${alphabet} ${first} 1 first)
        string(SUBSTRING ${alphabet} ${second} 1 second)
        string(APPEND base64 "${first}${second}")
    endforeach()
    string(SUBSTRING "${base64}" 0 43 base64)
    set(${result} "'sha256-${base64}='" PARENT_SCOPE)
endfunction()

function(read_without_map file result)
    file(READ "${file}" text)
    string(REGEX REPLACE "(//|/\\*)# sourceMappingURL=[^\n]*\n?" "" text "${text}")
    set(${result} "${text}" PARENT_SCOPE)
endfunction()

read_without_map("${DYGRAPHS}/dygraph.min.js" dygraphs)
read_without_map("${DYGRAPHS}/dygraph.min.css" style)
file(READ "${PAGE}/page.css" page_style)
string(APPEND style "\n${page_style}")

set(script "")
foreach(module IN LISTS modules)
    file(READ "${PAGE}/${module}.js" text)
    string(REGEX REPLACE "\nimport {[^}]*}[^;]*;" "" text "\n${text}")
    string(REGEX REPLACE "\nexport " "\n" text "${text}")
    string(APPEND script "${text}")
endforeach()

file(READ "${LICENCE}" licence)
string(REGEX REPLACE "^.*\n(Permission is hereby granted)" "\\1" permission "${licence}")
string(REGEX REPLACE "OTHER DEALINGS IN THE SOFTWARE\\..*" "OTHER DEALINGS IN THE SOFTWARE." permission "${permission}")
string(REGEX MATCH "\n(Copyright.*)\nSome tests" ignored "${licence}")
set(licence "${CMAKE_MATCH_1}\n${permission}")
if(NOT licence MATCHES "^Copyright" OR NOT licence MATCHES "WITHOUT WARRANTY")
    message(FATAL_ERROR "the licence of dygraphs is not in ${LICENCE}")
endif()
string(REPLACE "--" "- -" licence "${licence}")

hash_of("${dygraphs}" dygraphs_hash)
hash_of("${script}" script_hash)
hash_of("${style}" style_hash)
set(policy "default-src 'none'; script-src ${dygraphs_hash} ${script_hash}; style-src ${style_hash}; img-src data:; base-uri 'none'; form-action 'none'")

file(READ "${PAGE}/page.html" page)
foreach(name POLICY LICENCE STYLE DYGRAPHS SCRIPT)
    string(TOLOWER ${name} variable)
    string(REPLACE "@${name}@" "${${variable}}" page "${page}")
endforeach()

# Compilers need not take strings beyond 65536 characters. Pieces end behind a semicolon, never inside a character.
function(add_pieces function text)
    set(pieces "")
    string(LENGTH "${text}" left)
    while(left GREATER 16000)
        string(SUBSTRING "${text}" 0 16000 piece)
        string(FIND "${piece}" ";" last REVERSE)
        math(EXPR last "${last} + 1")
        string(SUBSTRING "${text}" 0 ${last} piece)
        string(SUBSTRING "${text}" ${last} -1 text)
        string(APPEND pieces "        R\"page(${piece})page\",\n")
        string(LENGTH "${text}" left)
    endwhile()
    string(APPEND pieces "        R\"page(${text})page\",\n")
    file(APPEND "${SOURCE}" "
std::span<const std::string_view> ${function}()
{
    static constexpr std::string_view pieces[] = {
${pieces}    };
    return pieces;
}
")
endfunction()

string(FIND "${page}" "@DATA@" before)
math(EXPR behind "${before} + 6")
string(SUBSTRING "${page}" 0 ${before} before_data)
string(SUBSTRING "${page}" ${behind} -1 behind_data)
file(WRITE "${SOURCE}" "#include \"mpeg_ts_overview/output/page_template.h\"\n")
add_pieces(page_before_data "${before_data}")
add_pieces(page_behind_data "${behind_data}")
