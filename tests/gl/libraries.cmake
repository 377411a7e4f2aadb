set(libraries host_gl)
