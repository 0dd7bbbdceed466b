algdata diff good good
