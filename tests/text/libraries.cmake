set(libraries kelvra_text)
