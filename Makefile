# The two commands of the README. Both install what is missing, then build.
ARGS ?= /exp_txt_report /exp_xml_report /exp_json_report
JOBS ?= $(shell nproc)

.PHONY: run test deps build build-test build-asan

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

# Only the unit tests and what they load, under AddressSanitizer and UBSan.
build-asan: deps
	cmake -S . -B build-asan -DCMAKE_BUILD_TYPE=Debug -DLUMENSCOPE_SANITIZE=ON -DLUMENSCOPE_WERROR=ON
	cmake --build build-asan -j$(JOBS) --target unit_tests

run: build
	./build/lumenscope $(ARGS)

# Every test in the full build, then the unit tests again under AddressSanitizer and UBSan.
test: build-test build-asan
	ctest --test-dir build-test --output-on-failure -j$(JOBS)
	ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
		ctest --test-dir build-asan --output-on-failure -L unit -j$(JOBS)
