# Quill.exe starts without the C runtime, so nothing would ever call a global object's dynamic
# initialiser: such a global silently stays zero. Fails when an object file of the program or of
# its core library holds a constructor list.
#   cmake -DOBJDUMP=... -DFILES="a.obj|b.obj|libcore.a" -P check_no_constructors.cmake
string(REPLACE "|" ";" files "${FILES}")
set(found "")
foreach(file IN LISTS files)
  execute_process(COMMAND "${OBJDUMP}" -h "${file}" OUTPUT_VARIABLE sections
                  RESULT_VARIABLE result ERROR_QUIET)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${OBJDUMP} could not read ${file}")
  endif()
  # An archive lists each member's sections under "<member>:     file format ...".
  string(REGEX MATCHALL "[^\n]*file format[^\n]*|[^\n]*\\.ctors[^\n]*" lines "${sections}")
  set(member "${file}")
  foreach(line IN LISTS lines)
    if(line MATCHES "^(.*):[ \t]+file format")
      set(member "${CMAKE_MATCH_1}")
    elseif(line MATCHES "\\.ctors")
      list(APPEND found "${member}")
    endif()
  endforeach()
endforeach()
if(found)
  list(REMOVE_DUPLICATES found)
  string(REPLACE ";" "\n  " found "${found}")
  message(FATAL_ERROR "global objects with dynamic initialisers in:\n  ${found}")
endif()
message(STATUS "no dynamic initialisers in ${FILES}")
