# The everyday commands. Each installs what it lacks (Debian packages, through apt-get) and says what it does.
# `make demo` builds a finished disk image from the sample project; `make test` runs every check.

JOBS ?= $(shell nproc 2>/dev/null || echo 2)

.PHONY: help build demo test app format bench

help:
	@echo "make demo     build the sample project into build/demo/ and check it"
	@echo "make test     build and run all tests"
	@echo "make app      start the editor (DOCUMENT=file.velmora opens one)"
	@echo "make format   format the sources"
	@echo "make bench    measure speed against the limits of the machine"

build:
	@scripts/install-packages build
	@cmake --preset dev -Wno-dev >/dev/null
	@cmake --build --preset dev -j $(JOBS)

demo: build
	@scripts/demo

test: build
	@scripts/install-packages check
	@ctest --preset dev -j $(JOBS)

app: build
	@build/bin/velmora $(DOCUMENT)

format:
	@scripts/install-packages gate
	@scripts/format

bench: build
	@scripts/bench
