# Every target installs what it needs first, when it is missing (scripts/setup), and builds what has
# changed. `make help` lists them.
.DEFAULT_GOAL := help
SCENE ?= scenes/demo-day.json
JOBS := $(shell nproc)
PRESET ?= release

.PHONY: help programs with-windows run run-json live test live-test lint bench sanitize fuzz clean

help:
	@echo "make run        play the demo day: a line for every change, and a summary"
	@echo "make run-json   the same day as JSON lines (docs/scenes.md)"
	@echo "make live       run on this desktop, a line for every change; Ctrl-C ends it"
	@echo "make test       all tests that need no display (PRESET=debug: without optimisation)"
	@echo "make live-test  real applications on a private headless desktop"
	@echo "make lint       formatting and static checks"
	@echo "make sanitize   the tests with the address and undefined-behaviour sanitizers"
	@echo "make fuzz       every fuzz target for a minute"
	@echo "make bench      what a sample costs"

# What people run, without the tests. Only what they print themselves goes to standard output.
programs:
	@scripts/setup build test >&2
	@cmake --preset release >/dev/null
	@cmake --build --preset release --target KestroHelper kestroctl >&2

run: programs
	@scripts/play $(SCENE)

run-json: programs
	@KESTRO_SCENE=$(SCENE) KESTRO_TRANSCRIPT=- build/release/bin/KestroHelper

# The windows need a toolkit, which nothing else does.
with-windows: programs
	@scripts/setup dialogs >&2
	@cmake --preset release -DKESTRO_DIALOGS=ON >/dev/null
	@cmake --build --preset release --target KestroDialogs icons >&2

live: with-windows
	@KESTRO_TRANSCRIPT=- KESTRO_TRANSCRIPT_FORMAT=text build/release/bin/KestroHelper

test:
	@scripts/setup build test
	@cmake --preset $(PRESET) >/dev/null
	@cmake --build --preset $(PRESET) --target tests
	@ctest --preset $(PRESET) -j$(JOBS)

live-test: with-windows
	@scripts/setup live
	@cmake --build --preset release --target search_check >&2
	@scripts/live-test

lint:
	@scripts/setup build test dialogs lint
	@scripts/lint

sanitize:
	@scripts/setup build test
	@cmake --preset sanitize >/dev/null
	@cmake --build --preset sanitize
	@ctest --preset sanitize -j$(JOBS)

fuzz:
	@scripts/setup build test fuzz
	@scripts/fuzz

bench: programs
	@scripts/setup live
	@cmake --build --preset release --target sample_benchmark x11_title_reader
	@scripts/bench

clean:
	@rm -rf build
