# Quick start: `make run` builds and starts the engine, `make test` builds and runs every test.
# `make EXE=path/name [ARCH=x86-64-v3] [CXX=clang++]` builds only the engine, optimised, at
# that path with nothing but the compiler: the form testing frameworks such as OpenBench use.
BUILD ?= build
JOBS  ?= $(shell nproc)
# Instruction set: the build machine's own by default; ARCH=x86-64 (or x86-64-v2, -v3...)
# for a binary that runs elsewhere, ARCH= (empty) for the compiler's default.
# Only the command line sets it: some environments export an ARCH of their own.
ifneq ($(origin ARCH),command line)
ARCH := native
endif

.PHONY: all build run test deps bench clean

ifdef EXE
all: $(EXE)
else
all: build
endif

deps:
	@./tools/install-deps.sh

build: deps
	@cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=Release -DKELVARAN_ARCH=$(ARCH) >/dev/null
	@cmake --build $(BUILD) -j $(JOBS) >&2

run: build
	@exec ./$(BUILD)/kelvaran

test: build
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

bench: build
	./tools/search-bench.sh ./$(BUILD)/kelvaran
	./tools/perft-bench.sh ./$(BUILD)/kelvaran

clean:
	rm -rf $(BUILD) $(BUILD)-exe

# The engine alone, straight from the sources: the CMake Release build's flags,
# link-time optimisation across every file included.
ifdef EXE
EXE_OBJ   := $(BUILD)-exe
EXE_SRC   := src/main.cpp $(wildcard src/board/*.cpp src/search/*.cpp src/bitbase/*.cpp \
                                     src/protocol/*.cpp src/book/*.cpp src/timing/*.cpp)
EXE_OBJS  := $(EXE_SRC:src/%.cpp=$(EXE_OBJ)/%.o)
EXE_LTO   := $(if $(findstring clang,$(shell $(CXX) --version 2>/dev/null)),-flto,-flto=auto)
# As in CMakeLists.txt: the native build without AVX-512, which made the search slower.
EXE_ARCH  := $(if $(ARCH),-march=$(ARCH)) \
             $(if $(and $(filter native,$(ARCH)),$(findstring x86_64,$(shell $(CXX) -dumpmachine))),-mno-avx512f)
EXE_FLAGS := -std=c++20 -O3 -DNDEBUG $(EXE_ARCH) $(EXE_LTO) -pthread \
             -Wall -Wextra -Wpedantic -Wshadow -Isrc $(CXXFLAGS)

# Objects are rebuilt when the compiler or its flags change.
EXE_STAMP := $(EXE_OBJ)/flags
$(shell mkdir -p $(EXE_OBJ) && echo '$(CXX) $(EXE_FLAGS)' | cmp -s - $(EXE_STAMP) \
        || echo '$(CXX) $(EXE_FLAGS)' > $(EXE_STAMP))

$(EXE_OBJ)/%.o: src/%.cpp $(EXE_STAMP)
	@mkdir -p $(dir $@)
	$(CXX) $(EXE_FLAGS) -MMD -MP -c $< -o $@

# The network's weights go into the program through the assembler.
$(EXE_OBJ)/search/netz.o: EXE_FLAGS += -DKELVARAN_NETZDATEI='"$(CURDIR)/src/search/netz.knn"'
$(EXE_OBJ)/search/netz.o: src/search/netz.knn

# The leading + hands make's job slots to the parallel link-time stage.
$(EXE): $(EXE_OBJS)
	@mkdir -p $(dir $@)
	+$(CXX) $(EXE_FLAGS) $(EXE_OBJS) $(LDFLAGS) -o $@

-include $(EXE_OBJS:.o=.d)
endif
