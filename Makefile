# SPDX-License-Identifier: GPL-3.0-or-later
# The two set-up commands of the README, and the everyday targets. Each target installs what it needs first,
# so `make run` and `make test` work on a fresh Debian 12 machine.

BUILD_DIR ?= build/dev
RELEASE_DIR ?= build/release
PREFIX ?= /usr/local
FOLDER ?=
JOBS ?= $(shell nproc)
SECONDS ?= 60

.PHONY: deps configure build run test sanitize bench fuzz install demo clean

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

test: build
	@cd $(BUILD_DIR) && ctest --output-on-failure -j $(JOBS) -LE network

# CI's second lane: one clang build under ASan + UBSan (build/fuzz) for the fuzz harnesses and every suite.
sanitize:
	@bash scripts/sanitizer-lane.sh

bench: deps
	@cmake --preset release >/dev/null
	@cmake --build $(RELEASE_DIR) -j $(JOBS)
	@bash bench/run-all.sh $(RELEASE_DIR)

# Every libFuzzer harness in fuzz/ for SECONDS seconds each (clang build in build/fuzz).
fuzz:
	@bash scripts/install-deps.sh --fuzz
	@bash scripts/run-fuzzers.sh $(SECONDS)

install: deps
	@cmake --preset release -DCMAKE_INSTALL_PREFIX=$(PREFIX) -DLUMARO_BUILD_TESTS=OFF -DLUMARO_BUILD_BENCH=OFF >/dev/null
	@cmake --build $(RELEASE_DIR) -j $(JOBS)
	@cmake --install $(RELEASE_DIR)

clean:
	@rm -rf build
