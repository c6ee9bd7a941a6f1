# Copies HEADERS, separated by commas, from the folder FROM to the folder TO, and then all of OWN
# over them.
string(REPLACE "," ";" headers "${HEADERS}")
foreach(header IN LISTS headers)
  get_filename_component(folder ${TO}/${header} DIRECTORY)
  if(NOT EXISTS ${OWN}/${header})
    file(COPY ${FROM}/${header} DESTINATION ${folder})
  endif()
endforeach()
file(COPY ${OWN}/ DESTINATION ${TO})
