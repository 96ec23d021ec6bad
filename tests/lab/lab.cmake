# tesk_lab_test(NAME COMMAND [ARGS...]) declares a ctest test that runs
# COMMAND in the lab host (scripts/lab.sh -- COMMAND ...; docs/lab.md),
# labelled "lab". Where no lab can be made (not root, no namespaces) the lab
# exits 2 with its reason on stderr and ctest counts the test as skipped; a
# command that itself exits 2 fails.
set(TESK_LAB_SCRIPT ${PROJECT_SOURCE_DIR}/scripts/lab.sh)

function(tesk_lab_test name)
  add_test(NAME ${name}
    COMMAND bash ${TESK_LAB_SCRIPT} --
      sh -c [=["$@"; status=$?; [ $status -ne 2 ] || status=1; exit $status]=] ${name} ${ARGN})
  set_tests_properties(${name} PROPERTIES LABELS lab SKIP_RETURN_CODE 2 TIMEOUT 600)
endfunction()
