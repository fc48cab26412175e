A=$(B)x$(B)
B=$(A)$(A)
C_OPTION=$(A)
