# Quick start:
#   make example   installs what is missing, builds, and runs steeldesign on the bundled example
#   make test      installs what is missing, builds, and runs every test
# Other targets: build, python (the Python module), test-sanitize (AddressSanitizer + UndefinedBehaviorSanitizer), bench, install, clean.

BUILD      ?= build
ASAN_BUILD ?= build-sanitize
BENCH_BUILD ?= build-bench
JOBS       ?= $(shell nproc 2>/dev/null || echo 2)
CMAKE_ARGS ?=

# Debian packages the build needs; installed by `make deps` only when one is missing.
PACKAGES = cmake g++ make libcli11-dev nlohmann-json3-dev libgtest-dev libgmock-dev libbenchmark-dev libeigen3-dev \
           python3-dev pybind11-dev python3-numpy python3-pandas python3-dask python3-distributed python3-pytest

.PHONY: deps build example python test test-sanitize bench install clean

deps:
	@missing=""; for p in $(PACKAGES); do \
	  dpkg-query -W -f='$${Status}' $$p 2>/dev/null | grep -q "install ok installed" || missing="$$missing $$p"; \
	done; \
	if [ -n "$$missing" ]; then \
	  echo "installing:$$missing"; \
	  SUDO=""; [ "$$(id -u)" -ne 0 ] && SUDO=sudo; \
	  $$SUDO apt-get update -qq && DEBIAN_FRONTEND=noninteractive $$SUDO apt-get install -y -qq $$missing; \
	fi

build: deps
	cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=Release $(CMAKE_ARGS)
	cmake --build $(BUILD) -j $(JOBS)

# The example model: the exit code 1 of `batch` (some members not fulfilled) is a result, not a failure.
example: build
	@./$(BUILD)/steeldesign batch examples/frames.csv --format csv --out $(BUILD)/frames-results.csv; \
	  rc=$$?; echo "results: $(BUILD)/frames-results.csv (exit code $$rc)"; [ $$rc -le 1 ]

# The Python module, importable with PYTHONPATH=$(BUILD)/python (built by `build` too).
python: build
	@echo "Python module: PYTHONPATH=$(BUILD)/python python3 -c 'import steeldesign'"

test: build
	ctest --test-dir $(BUILD) --output-on-failure -j $(JOBS)

test-sanitize: deps
	cmake -S . -B $(ASAN_BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DSTEELDESIGN_SANITIZE=ON $(CMAKE_ARGS)
	cmake --build $(ASAN_BUILD) -j $(JOBS)
	ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 ctest --test-dir $(ASAN_BUILD) --output-on-failure -j $(JOBS)

bench: deps
	cmake -S . -B $(BENCH_BUILD) -DCMAKE_BUILD_TYPE=Release -DSTEELDESIGN_BUILD_BENCH=ON -DSTEELDESIGN_BUILD_TESTS=OFF $(CMAKE_ARGS)
	cmake --build $(BENCH_BUILD) -j $(JOBS) --target bench

install: build
	cmake --install $(BUILD)

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(BENCH_BUILD)
