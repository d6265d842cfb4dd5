# The README shows the example word for word.
file(READ ${README} readme)
file(READ ${CODE} code)
string(FIND "${readme}" "${code}" at)
if(at EQUAL -1)
  message(FATAL_ERROR "${README} does not quote ${CODE}")
endif()
