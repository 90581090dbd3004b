BUILD_DIR ?= build
CMAKE_FLAGS ?= -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
JOBS ?= $(shell nproc)
PREFIX ?= /usr/local

.PHONY: all deps configure build run test bench format clean install deb

all: build

deps:
	@scripts/install-deps

$(BUILD_DIR)/build.ninja:
	cmake -S . -B $(BUILD_DIR) $(CMAKE_FLAGS)

configure: $(BUILD_DIR)/build.ninja

build: deps configure
	cmake --build $(BUILD_DIR) -j $(JOBS)

run: build
	$(BUILD_DIR)/bin/odeleaf

test: build
	cd $(BUILD_DIR) && ctest --output-on-failure -j $(JOBS)

# DESTDIR stages the installation below another folder, as packagers do.
install: build
	DESTDIR="$(DESTDIR)" cmake --install $(BUILD_DIR) --prefix "$(PREFIX)"

deb: build
	cd $(BUILD_DIR) && cpack -G DEB

bench: build
	@scripts/run-benchmarks $(BUILD_DIR)

format:
	git ls-files '*.cpp' '*.h' | xargs clang-format -i

clean:
	rm -rf $(BUILD_DIR)
