# Before the package is packed: without these it would be packed with too few dependencies, and nobody would be told.
foreach(tool IN ITEMS file dpkg-shlibdeps)
  find_program(found ${tool} NO_CACHE)
  if(NOT found)
    message(FATAL_ERROR "${tool} is missing: apt-get install file dpkg-dev")
  endif()
  unset(found)
endforeach()
