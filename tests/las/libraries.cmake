set(libraries kelvra_las)
