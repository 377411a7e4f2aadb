set(libraries kelvra_host)
