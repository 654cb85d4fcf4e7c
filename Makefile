# SPDX-License-Identifier: GPL-3.0-or-later
# The two set-up commands of the README, and the everyday targets. Each target installs what it needs first,
# so `make run` and `make test` work on a fresh Debian 12 machine.

BUILD_DIR ?= build/dev
CHECK_DIR ?= build/check
RELEASE_DIR ?= build/release
PREFIX ?= /usr/local
FOLDER ?=
JOBS ?= $(shell nproc)
SECONDS ?= 60

.PHONY: deps configure build run test bench fuzz install demo clean

deps:
	@bash scripts/install-deps.sh

configure: deps
	@cmake --preset dev >/dev/null

build: configure
	@cmake --build $(BUILD_DIR) -j $(JOBS)

# Opens the app on FOLDER, or on a generated demo folder when none is given.
run: build
	@folder="$(FOLDER)"; \
	if [ -z "$$folder" ]; then folder=$$(bash scripts/make-demo-folder.sh "$(BUILD_DIR)/demo"); fi; \
	models="$(CURDIR)/../shared/models"; \
	if [ -z "$$LUMARO_MODELS_DIR" ] && [ -d "$$models" ]; then export LUMARO_MODELS_DIR="$$models"; fi; \
	exec $(BUILD_DIR)/app/lumaro "$$folder"

# The suite runs in its own clang build under the address and undefined-behaviour sanitizers, so every test
# also hunts memory errors, and each fuzz harness takes a short turn over its corpus. Listing a suite's tests
# at build time runs the binary; its exit must not fail the build on a third-party library's leak (the test
# run below checks leaks, with tests/sanitizers/lsan.supp).
test: deps
	@cmake --preset check >/dev/null
	@ASAN_OPTIONS=detect_leaks=0 cmake --build $(CHECK_DIR) -j $(JOBS)
	@ctest --preset check -j $(JOBS) -LE network || { bash scripts/show-failed-tests.sh $(CHECK_DIR); exit 1; }

bench: deps
	@cmake --preset release >/dev/null
	@cmake --build $(RELEASE_DIR) -j $(JOBS)
	@bash bench/run-all.sh $(RELEASE_DIR)

# Every libFuzzer harness in fuzz/ for SECONDS seconds each (in the test build, build/check).
fuzz: deps
	@bash scripts/run-fuzzers.sh $(SECONDS)

install: deps
	@cmake --preset release -DCMAKE_INSTALL_PREFIX=$(PREFIX) -DLUMARO_BUILD_TESTS=OFF -DLUMARO_BUILD_BENCH=OFF >/dev/null
	@cmake --build $(RELEASE_DIR) -j $(JOBS)
	@cmake --install $(RELEASE_DIR)

clean:
	@rm -rf build
