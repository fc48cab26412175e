# Counts the results in the verbose output of ctest: every GoogleTest case of a test program, and a
# test program (or fuzz run) as a whole when it failed without a failed case of its own, or when
# it is not a GoogleTest program. Prints "PASSED FAILED".
match($0, /^[0-9]+: /) {
  n = substr($0, 1, RLENGTH - 2)
  line = substr($0, RLENGTH + 1)
  if (line ~ /^\[       OK \] .* \([0-9]+ ms\)$/) { ok[n]++; seen[n] = 1 }
  if (line ~ /^\[  FAILED  \] .* \([0-9]+ ms\)$/) { bad[n]++; seen[n] = 1 }
  next
}
match($0, /Test +#[0-9]+: /) {
  s = substr($0, RSTART, RLENGTH)
  gsub(/[^0-9]/, "", s)
  result[s] = ($0 ~ /Passed/) ? "pass" : "fail"
}
END {
  passed = 0; failed = 0
  for (n in result) {
    passed += ok[n]; failed += bad[n]
    if (!seen[n]) { if (result[n] == "pass") passed++; else failed++ }
    else if (result[n] == "fail" && bad[n] == 0) failed++
  }
  print passed, failed
}
