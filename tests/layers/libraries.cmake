# Looks at files only: the sources, the built module and the lists of the interface check.
set(libraries)
add_dependencies(${target} kelvra_module kelvra_interface_check)
