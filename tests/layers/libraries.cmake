# Looks at files only: the sources, and the built module.
set(libraries)
add_dependencies(${target} kelvra_module)
