# Quick start:
#   make example   installs what the command needs, builds the command, and runs it on the bundled example
#   make test      installs the rest, builds everything, and runs every test
# Other targets: command, build, python (the Python module), test-sanitize (AddressSanitizer + UndefinedBehaviorSanitizer), bench, install, clean.

SHELL      := /bin/bash
BUILD      ?= build
ASAN_BUILD ?= build-sanitize
TSAN_BUILD ?= build-tsan
FUZZ_BUILD ?= build-fuzz
FUZZ_SECONDS ?= 60
FUZZ_TARGETS = batch_rows section_names flat_call_steel_design moment_coefficient_zeta
BENCH_BUILD ?= build-bench
JOBS       ?= $(shell nproc 2>/dev/null || echo 2)
CMAKE_ARGS ?=

# Debian packages, installed only when one is missing: the command's (`make example`: to build and run
# it), then the rest (`make test`: the tests, the Python module, the browser for the report's tests, the
# benchmarks).
COMMAND_PACKAGES = cmake g++ make libcli11-dev nlohmann-json3-dev libeigen3-dev
PACKAGES = $(COMMAND_PACKAGES) libgtest-dev libgmock-dev libbenchmark-dev \
           python3-dev pybind11-dev python3-numpy python3-pandas python3-dask python3-distributed python3-pytest \
           python3-pip python3-venv python3-setuptools \
           chromium poppler-utils

# The fuzzers need clang and its sanitizer and libFuzzer runtimes besides.
FUZZ_PACKAGES = clang libclang-rt-14-dev

.PHONY: deps deps-command deps-fuzz build command example python test test-sanitize test-tsan fuzz bench install clean

deps:
	@missing=""; for p in $(PACKAGES); do \
	  dpkg-query -W -f='$${Status}' $$p 2>/dev/null | grep -q "install ok installed" || missing="$$missing $$p"; \
	done; \
	if [ -n "$$missing" ]; then \
	  echo "installing:$$missing"; \
	  SUDO=""; [ "$$(id -u)" -ne 0 ] && SUDO=sudo; \
	  $$SUDO apt-get update -qq && DEBIAN_FRONTEND=noninteractive $$SUDO apt-get install -y -qq $$missing; \
	fi

deps-command:
	@$(MAKE) --no-print-directory deps PACKAGES="$(COMMAND_PACKAGES)"

deps-fuzz: deps
	@$(MAKE) --no-print-directory deps PACKAGES="$(FUZZ_PACKAGES)"

# Everything: the libraries, the command, the tests and the Python module.
build: deps
	cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=Release -DSTEELDESIGN_BUILD_TESTS=ON -DSTEELDESIGN_BUILD_PYTHON=ON $(CMAKE_ARGS)
	cmake --build $(BUILD) -j $(JOBS)

# The command alone (the libraries below it and the command), in the same build folder as `build`.
command: deps-command
	cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=Release -DSTEELDESIGN_BUILD_TESTS=OFF -DSTEELDESIGN_BUILD_PYTHON=OFF $(CMAKE_ARGS)
	cmake --build $(BUILD) -j $(JOBS) --target steeldesign-cli

# The example model: the exit code 1 of `batch` (some members not fulfilled) is a result, not a failure.
example: command
	@./$(BUILD)/steeldesign batch examples/frames.csv --format csv --out $(BUILD)/frames-results.csv; \
	  rc=$$?; echo "results: $(BUILD)/frames-results.csv (exit code $$rc)"; [ $$rc -le 1 ] || exit 1; \
	  ./$(BUILD)/steeldesign report examples/frames.csv --out $(BUILD)/frames-report.html > /dev/null; \
	  rc=$$?; echo "design report: $(BUILD)/frames-report.html"; [ $$rc -le 1 ]

# The Python module, importable with PYTHONPATH=$(BUILD)/python (built by `build` too).
python: build
	@echo "Python module: PYTHONPATH=$(BUILD)/python python3 -c 'import steeldesign'"

test: build
	ctest --test-dir $(BUILD) --output-on-failure -j $(JOBS)

test-sanitize: deps
	cmake -S . -B $(ASAN_BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DSTEELDESIGN_SANITIZE=ON $(CMAKE_ARGS)
	cmake --build $(ASAN_BUILD) -j $(JOBS)
	ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 ctest --test-dir $(ASAN_BUILD) --output-on-failure -j $(JOBS)

# ThreadSanitizer: the batch's tests and a 100,000-row batch on two threads against one thread.
test-tsan: deps
	cmake -S . -B $(TSAN_BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DSTEELDESIGN_TSAN=ON $(CMAKE_ARGS)
	cmake --build $(TSAN_BUILD) -j $(JOBS) --target steeldesign-cli steeldesign_tests
	TSAN_OPTIONS=halt_on_error=1 ctest --test-dir $(TSAN_BUILD) --output-on-failure -j $(JOBS) -R 'Batch|JsonLines|StreamedOutput'
	@head -1 examples/frames.csv > $(TSAN_BUILD)/tsan-rows.csv; \
	  for i in $$(seq 1961); do tail -n +2 examples/frames.csv; done | head -100000 >> $(TSAN_BUILD)/tsan-rows.csv; \
	  TSAN_OPTIONS=halt_on_error=1 ./$(TSAN_BUILD)/steeldesign batch $(TSAN_BUILD)/tsan-rows.csv --jobs 2 --format csv --out $(TSAN_BUILD)/tsan-2.csv > /dev/null; rc2=$$?; \
	  ./$(TSAN_BUILD)/steeldesign batch $(TSAN_BUILD)/tsan-rows.csv --jobs 1 --format csv --out $(TSAN_BUILD)/tsan-1.csv > /dev/null; \
	  [ $$rc2 -le 3 ] && cmp $(TSAN_BUILD)/tsan-1.csv $(TSAN_BUILD)/tsan-2.csv && echo "tsan: 100,000 rows on two threads, no race, the output of one thread"

# libFuzzer: each target FUZZ_SECONDS on its corpus; new inputs go to $(FUZZ_BUILD)/corpus, a finding
# stops with the input written to $(FUZZ_BUILD)/ (keep it in fuzz/corpus/<target> once fixed).
fuzz: deps-fuzz
	CC=clang CXX=clang++ cmake -S . -B $(FUZZ_BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DSTEELDESIGN_BUILD_FUZZ=ON \
	  -DSTEELDESIGN_BUILD_TESTS=OFF -DSTEELDESIGN_BUILD_PYTHON=OFF $(CMAKE_ARGS)
	cmake --build $(FUZZ_BUILD) -j $(JOBS) --target fuzz
	@for t in $(FUZZ_TARGETS); do \
	  mkdir -p $(FUZZ_BUILD)/corpus/$$t; \
	  echo "fuzz_$$t: $(FUZZ_SECONDS) s"; \
	  ./$(FUZZ_BUILD)/fuzz/fuzz_$$t -max_total_time=$(FUZZ_SECONDS) -print_final_stats=1 -artifact_prefix=$(FUZZ_BUILD)/$$t- \
	    $(FUZZ_BUILD)/corpus/$$t fuzz/corpus/$$t 2>&1 | grep -E "^(#[0-9]+.*(DONE|INITED)|stat::number_of_executed_units|ERROR|SUMMARY)|cov:" | tail -4; \
	  status=$${PIPESTATUS[0]}; [ $$status -eq 0 ] || { echo "fuzz_$$t: finding (exit $$status)"; exit 1; }; \
	done

bench: deps
	cmake -S . -B $(BENCH_BUILD) -DCMAKE_BUILD_TYPE=Release -DSTEELDESIGN_BUILD_BENCH=ON -DSTEELDESIGN_BUILD_TESTS=OFF $(CMAKE_ARGS)
	cmake --build $(BENCH_BUILD) -j $(JOBS) --target bench

install: build
	cmake --install $(BUILD)

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(TSAN_BUILD) $(FUZZ_BUILD) $(BENCH_BUILD)
