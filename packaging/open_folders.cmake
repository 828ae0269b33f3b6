# Before the package is packed: its folders may be read by all, whatever the mask of the user who makes it.
file(CHMOD_RECURSE ${CPACK_TEMPORARY_DIRECTORY}
  DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
