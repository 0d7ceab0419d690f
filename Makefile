# Vornhale: the two commands of the set-up contract are `make run` and `make test`.

BUILD      ?= build
ASAN_BUILD ?= build-asan
FUZZ_BUILD ?= build-fuzz
JOBS       ?= $(shell nproc)
SAMPLE     := data/sample/SAMPLE2026.ALL
RUN_DIR    := $(BUILD)/run
FUZZ_SECONDS ?= 60

.PHONY: all deps build run run-gui screenshots test bench fuzz asan deb format clean

all: build

deps:
	@bash scripts/install-deps.sh

$(BUILD)/build.ninja: | deps
	cmake -S . -B $(BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo

build: deps $(BUILD)/build.ninja
	cmake --build $(BUILD) -j $(JOBS)

run: build
	@rm -rf $(RUN_DIR) && mkdir -p $(RUN_DIR)/log
	@cp $(SAMPLE) $(RUN_DIR)/log/
	$(BUILD)/cli/vornhale-cli convert --home $(RUN_DIR)/home --keep-work $(RUN_DIR)/log/$(notdir $(SAMPLE))
	@echo
	@echo "Results beside the log in $(abspath $(RUN_DIR)/log):"
	@ls -1 $(abspath $(RUN_DIR)/log)

# The window program, on the program folder of the user (or $VORNHALE_HOME).
run-gui: deps $(BUILD)/build.ninja
	cmake --build $(BUILD) -j $(JOBS) --target vornhale
	$(BUILD)/src/ui/vornhale

# Pictures of the windows for README.md, taken under Xvfb into docs/screenshots/.
screenshots: deps $(BUILD)/build.ninja
	cmake --build $(BUILD) -j $(JOBS) --target vornhale
	@bash scripts/screenshots.sh $(BUILD) docs/screenshots

test: build
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

bench: build
	@bash bench/run.sh $(BUILD)

# The whole test suite under address and undefined-behaviour sanitizers: optimised lightly
# (-O1 keeps the stacks readable and the run short), no benchmarks. The first error ends the
# test that hit it; leaks are errors. tests/sanitizers/lsan.supp names the few leaks of
# outside libraries that are not ours.
SANITIZER_ENV := ASAN_OPTIONS=detect_leaks=1:halt_on_error=1:abort_on_error=1:detect_stack_use_after_return=1:check_initialization_order=1 \
	UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
	LSAN_OPTIONS=suppressions=$(abspath tests/sanitizers/lsan.supp):print_suppressions=0
CCACHE := $(if $(shell command -v ccache),-DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache)

asan: deps
	cmake -S . -B $(ASAN_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
		-DCMAKE_CXX_FLAGS_RELWITHDEBINFO="-O1 -g" -DVORNHALE_SANITIZE=ON -DVORNHALE_BENCH=OFF $(CCACHE)
	$(SANITIZER_ENV) cmake --build $(ASAN_BUILD) -j $(JOBS)
	cd $(ASAN_BUILD) && $(SANITIZER_ENV) ctest --output-on-failure -j $(JOBS) -LE package

fuzz: deps
	CC=clang CXX=clang++ cmake -S . -B $(FUZZ_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
		-DVORNHALE_FUZZ=ON -DVORNHALE_TESTS=OFF -DVORNHALE_BENCH=OFF $(CCACHE)
	cmake --build $(FUZZ_BUILD) -j $(JOBS)
	@bash fuzz/run.sh $(FUZZ_BUILD) $(FUZZ_SECONDS)

# The Debian package (CPack): the window, the command line, the default data, a desktop
# entry and an icon; dependencies computed by dpkg-shlibdeps.
deb: build
	cd $(BUILD) && cpack -G DEB
	@ls -1 $(BUILD)/vornhale_*.deb

format:
	@git ls-files '*.cpp' '*.h' | xargs clang-format -i

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(FUZZ_BUILD)
