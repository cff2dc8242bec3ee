# remote_coding_embed_resources(<variable> <file>...)
# Writes a source file that holds the given files for EmbeddedResources.hpp, and sets the variable to its path; to nothing
# when there is no file. Text only: a file becomes a string literal.
function(remote_coding_embed_resources variable)
    set(${variable} "" PARENT_SCOPE)
    if(NOT ARGN)
        return()
    endif()
    set(entries "")
    foreach(file IN LISTS ARGN)
        cmake_path(GET file FILENAME name)
        file(READ "${file}" text)
        string(APPEND entries "    {\"${name}\", R\"resource(${text})resource\"},\n")
    endforeach()
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${ARGN})
    set(source "${CMAKE_CURRENT_BINARY_DIR}/EmbeddedResources.cpp")
    file(CONFIGURE OUTPUT "${source}" @ONLY CONTENT [[
#include "Components/RemoteCoding/Resources/EmbeddedResources.hpp"

namespace RemoteCoding {

namespace {

constexpr EmbeddedResource files[] = {
@entries@};

}  // namespace

std::span<const EmbeddedResource> embeddedResources() { return files; }

}  // namespace RemoteCoding
]])
    set(${variable} "${source}" PARENT_SCOPE)
endfunction()
