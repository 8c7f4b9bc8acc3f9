"""Makes the demo sites from the public files in ../source."""
