# The documentation: every command and code block of README.md, docs/ and data/README.md runs on
# scratch databases with the programs of this build, the design file's schema (which its reference
# page is written from) names what the program reads, and the site builds with MkDocs, warnings as
# errors. The Release tree runs them (the sanitizer tree's module needs its runtime preloaded).
find_package(Python3 COMPONENTS Interpreter)
if(Python3_Interpreter_FOUND AND TARGET caudalis_app AND TARGET caudalis_python AND NOT CAUDALIS_SANITIZE)
  set(CAUDALIS_DOCS_ENVIRONMENT PYTHONPATH=${PROJECT_BINARY_DIR}/python CAUDALIS_CLI=$<TARGET_FILE:caudalis_app>
    PYTHONDONTWRITEBYTECODE=1 MPLBACKEND=Agg)
  add_test(NAME Docs.EveryCodeBlockRuns
    COMMAND ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/scripts/docs/run_examples.py
            ${PROJECT_BINARY_DIR} ${PROJECT_SOURCE_DIR})
  add_test(NAME Docs.RunnerCatchesDrift
    COMMAND ${Python3_EXECUTABLE} -m pytest -q -p no:cacheprovider ${PROJECT_SOURCE_DIR}/scripts/docs/test_run_examples.py)
  add_test(NAME Docs.DesignSchemaMatchesProgram
    COMMAND ${Python3_EXECUTABLE} -m pytest -q -p no:cacheprovider ${PROJECT_SOURCE_DIR}/scripts/docs/test_design_schema.py)
  add_test(NAME Docs.SiteBuildsStrict
    COMMAND bash ${PROJECT_SOURCE_DIR}/scripts/build-docs.sh ${PROJECT_BINARY_DIR})
  set_tests_properties(Docs.RunnerCatchesDrift Docs.DesignSchemaMatchesProgram Docs.SiteBuildsStrict
    PROPERTIES ENVIRONMENT "${CAUDALIS_DOCS_ENVIRONMENT}")
  # The office how-to's commands run on the throwaway PostgreSQL server of the persistence tests.
  set_tests_properties(Docs.EveryCodeBlockRuns PROPERTIES FIXTURES_REQUIRED postgresql
    ENVIRONMENT "${CAUDALIS_DOCS_ENVIRONMENT};CAUDALIS_TEST_POSTGRESQL=${PROJECT_BINARY_DIR}/tests/postgresql-server.state")
endif()
