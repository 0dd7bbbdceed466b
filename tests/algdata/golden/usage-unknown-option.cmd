algdata show --colour good
