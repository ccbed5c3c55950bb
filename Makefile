# Vantorel: two commands set up a fresh Debian machine.
#   make run    build, then open the window on the sample folder
#   make test   build, then run every test
#   make install [PREFIX=/usr/local] [DESTDIR=...]   build, then install for the desktop
# Each installs the Debian packages it needs when they are missing.

BUILD_DIR ?= build
BUILD_TYPE ?= Release
JOBS ?= $(shell nproc 2>/dev/null || echo 2)
PREFIX ?= /usr/local
DEBIAN_PACKAGES := cmake g++ make pkg-config libpcre2-dev libgtest-dev libgmock-dev nlohmann-json3-dev unrtf \
                   qt6-base-dev xdg-utils appstream desktop-file-utils

.PHONY: all deps configure build run test install bench clean

all: build

deps:
	@missing=""; \
	for p in $(DEBIAN_PACKAGES); do \
	  dpkg-query -W -f='$${Status}' $$p 2>/dev/null | grep -q 'install ok installed' || missing="$$missing $$p"; \
	done; \
	if [ -n "$$missing" ]; then \
	  echo "Installing Debian packages:$$missing"; \
	  if [ "$$(id -u)" -eq 0 ]; then sudo=""; else sudo="sudo"; fi; \
	  $$sudo apt-get update -qq && \
	  $$sudo env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq $$missing; \
	fi

configure: deps
	cmake -S . -B $(BUILD_DIR) -DCMAKE_BUILD_TYPE=$(BUILD_TYPE) -DBUILD_TESTING=ON

build: configure
	cmake --build $(BUILD_DIR) -j $(JOBS)

run: build
	./$(BUILD_DIR)/vantorel "$(CURDIR)/sample"

test: build
	cd $(BUILD_DIR) && ctest --output-on-failure -j $(JOBS)

install: build
	DESTDIR="$(DESTDIR)" cmake --install $(BUILD_DIR) --prefix "$(PREFIX)"

BENCH_PACKAGES := ripgrep grep sed findutils time

bench: build
	@$(MAKE) --no-print-directory deps DEBIAN_PACKAGES="$(BENCH_PACKAGES)"
	bench/run.sh

clean:
	rm -rf $(BUILD_DIR)
