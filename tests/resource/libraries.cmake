set(libraries host_resource)
