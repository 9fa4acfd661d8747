"""The families of things that a sample home holds, one module each, and the workshop that makes them."""
