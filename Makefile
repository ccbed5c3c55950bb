# Vantorel: two commands set up a fresh Debian machine.
#   make run    build, then open the window on the sample folder
#   make test   build, then run every test
#   make sanitize   the engine's tests under the sanitizers (CI runs it)
#   make install [PREFIX=/usr/local] [DESTDIR=...]   build, then install for the desktop
#   make package   build the Debian package vantorel_<version>_amd64.deb here
# Each installs the Debian packages it needs when they are missing.

BUILD_DIR ?= build
BUILD_TYPE ?= Release
JOBS ?= $(shell nproc 2>/dev/null || echo 2)
PREFIX ?= /usr/local
DEBIAN_PACKAGES := cmake g++ make pkg-config libpcre2-dev libgtest-dev libgmock-dev nlohmann-json3-dev unrtf acl \
                   qt6-base-dev xdg-utils appstream desktop-file-utils patch \
                   help2man groff-base bash-completion dpkg-dev file lintian \
                   xvfb xauth dbus at-spi2-core python3-pyatspi
PACKAGE_BUILD_DIR ?= build-deb

.PHONY: all deps configure build run test install package sanitize sanitize-address sanitize-thread bench clean

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

# The engine's tests once more under AddressSanitizer with
# UndefinedBehaviorSanitizer (build-asan/) and under ThreadSanitizer
# (build-tsan/), without the window. Any report fails the test it comes from.
SANITIZER_ENV := UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 TSAN_OPTIONS=halt_on_error=1:second_deadlock_stack=1

define sanitized_tests
	cmake -S . -B $(1) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DBUILD_TESTING=ON -DVANTOREL_UI=OFF -DVANTOREL_SANITIZE=$(2)
	cmake --build $(1) -j $(JOBS) --target engine_tests cli_tests
	cd $(1) && env $(SANITIZER_ENV) ctest --output-on-failure -j $(JOBS)
endef

sanitize: sanitize-address sanitize-thread

sanitize-address: deps
	$(call sanitized_tests,build-asan,address)

sanitize-thread: deps
	$(call sanitized_tests,build-tsan,thread)

install: build
	DESTDIR="$(DESTDIR)" cmake --install $(BUILD_DIR) --prefix "$(PREFIX)"

# The Debian package, built apart in $(PACKAGE_BUILD_DIR) for /usr with
# Debian's hardening flags, its dependencies worked out by dpkg-shlibdeps.
package: export DEB_BUILD_MAINT_OPTIONS = hardening=+all
package: deps
	cmake -S . -B $(PACKAGE_BUILD_DIR) -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF -DCMAKE_INSTALL_PREFIX=/usr \
	  -DCMAKE_CXX_FLAGS="$$(dpkg-buildflags --get CPPFLAGS) $$(dpkg-buildflags --get CXXFLAGS)" \
	  -DCMAKE_EXE_LINKER_FLAGS="$$(dpkg-buildflags --get LDFLAGS)"
	cmake --build $(PACKAGE_BUILD_DIR) -j $(JOBS)
	rm -f $(PACKAGE_BUILD_DIR)/*.deb
	cd $(PACKAGE_BUILD_DIR) && cpack -G DEB
	cp $(PACKAGE_BUILD_DIR)/vantorel_*.deb .
	@echo "Built $$(ls $(PACKAGE_BUILD_DIR)/vantorel_*.deb | xargs -n1 basename): sudo apt install ./$$(ls $(PACKAGE_BUILD_DIR)/vantorel_*.deb | xargs -n1 basename)"

BENCH_PACKAGES := ripgrep grep sed findutils time

# PARTS="find replace batch firstrow cold" picks some (see bench/all.sh).
bench: build
	@$(MAKE) --no-print-directory deps DEBIAN_PACKAGES="$(BENCH_PACKAGES)"
	bench/all.sh

clean:
	rm -rf $(BUILD_DIR) build-asan build-tsan $(PACKAGE_BUILD_DIR)
