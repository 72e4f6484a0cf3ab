# Quick start: `make run` builds and starts the engine, `make test` builds and runs every test.
BUILD ?= build
JOBS  ?= $(shell nproc)

.PHONY: all build run test deps bench clean

all: build

deps:
	@./tools/install-deps.sh

build: deps
	@cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=Release >/dev/null
	@cmake --build $(BUILD) -j $(JOBS) >&2

run: build
	@exec ./$(BUILD)/kelvaran

test: build
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

bench: build
	./tools/search-bench.sh ./$(BUILD)/kelvaran
	./tools/perft-bench.sh ./$(BUILD)/kelvaran

clean:
	rm -rf $(BUILD)
