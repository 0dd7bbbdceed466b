# SPDX-License-Identifier: Apache-2.0
#
# Writes report.css and report.js as C++ arrays:
#
#     cmake -DFROM=DIRECTORY -DTO=FILE -P embed.cmake

set(code "/* Made from report.css and report.js. */\n")
string(APPEND code "#include \"report/assets.h\"\n\nnamespace algdata\n{\n\n")
foreach(asset style:report.css script:report.js)
    string(REPLACE ":" ";" asset ${asset})
    list(GET asset 0 name)
    list(GET asset 1 file)
    file(READ ${FROM}/${file} bytes HEX)
    file(SHA256 ${FROM}/${file} hash)
    string(REGEX REPLACE "(..)" "'\\\\x\\1'," list "${bytes}")
    string(APPEND code "static const char ${name}Text[] = {${list}};\n"
        "const Asset ${name}Asset = {{${name}Text, sizeof ${name}Text}, \"${hash}\"};\n\n")
endforeach()
string(APPEND code "} // namespace algdata\n")
file(WRITE ${TO} "${code}")
