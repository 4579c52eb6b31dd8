# The two commands of the README. Both install what is missing, then build.
ARGS ?= /exp_txt_report /exp_xml_report /exp_json_report
JOBS ?= $(shell nproc)

.PHONY: run test deps build build-test build-asan build-fuzz check-valgrind

deps:
	@sh tools/install_deps.sh

# The program alone: no tests, fakes or benchmarks.
build: deps
	cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo -DBUILD_TESTING=OFF
	cmake --build build -j$(JOBS)

# Everything, with warnings as errors.
build-test: deps
	cmake -S . -B build-test -DCMAKE_BUILD_TYPE=RelWithDebInfo -DBUILD_TESTING=ON -DLUMENSCOPE_WERROR=ON
	cmake --build build-test -j$(JOBS)

# Under AddressSanitizer and UBSan: the unit tests and what they load, the batch program with the fake
# drivers it is run through, and the program itself.
build-asan: deps
	cmake -S . -B build-asan -DCMAKE_BUILD_TYPE=Debug -DLUMENSCOPE_SANITIZE=ON -DLUMENSCOPE_WERROR=ON
	cmake --build build-asan -j$(JOBS) --target unit_tests fake_driver_batch lumenscope keep_libraries_mapped

# The libFuzzer targets alone, built by clang with AddressSanitizer and UBSan (tests/fuzz/fuzz_tree.cmake).
build-fuzz: deps
	CC=clang-15 CXX=clang++-15 cmake -S . -B build-fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo -DLUMENSCOPE_FUZZ=ON
	cmake --build build-fuzz -j$(JOBS)

run: build
	./build/lumenscope $(ARGS)

# Every test in the full build, then the unit tests, the batch program through the fake drivers and the
# program ended while its demos run, under AddressSanitizer and UBSan, then each fuzz target for 30 s. A
# skipped test fails the run (tools/ctest_no_skips.sh).
test: build-test build-asan build-fuzz
	tools/ctest_no_skips.sh --test-dir build-test --output-on-failure -j$(JOBS)
	ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
		tools/ctest_no_skips.sh --test-dir build-asan --output-on-failure -L unit -j$(JOBS)
	tools/ctest_no_skips.sh --test-dir build-asan --output-on-failure -L fake_drivers -j$(JOBS)
	tools/ctest_no_skips.sh --test-dir build-asan --output-on-failure -L demo_shutdown -j$(JOBS)
	tools/ctest_no_skips.sh --test-dir build-fuzz --output-on-failure -L fuzz -j$(JOBS)

# The batch program under valgrind's memcheck on this machine; not part of `test`, it takes minutes.
check-valgrind: build
	sh tools/check_valgrind.sh build/lumenscope
