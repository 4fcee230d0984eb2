// SPDX-License-Identifier: Apache-2.0
// Leaves an object behind, which shows whether that ends a test.

int main() {
    int* volatile left = new int(0);
    left = nullptr;
    return left == nullptr ? 0 : 1;
}
